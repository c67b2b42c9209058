SELECT TIP, Cod_Fiscal, Anul, Luna, MIN(Record_ID) AS Pozitia, Cod_NC, MAX(Descriere_NC) AS Descriere1,
  Tara_Orig, Tara_Exp, Tara_Dest,
  ROUND(SUM(Val_Fiscala), 4) AS Val_Fiscala1, ROUND(SUM(Val_Stat), 4) AS Val_Stat1,
  ROUND(SUM(Net), 4) AS Net1, ROUND(SUM(Cantitate), 4) AS Cantitate1,
  Cod_UMS, ROUND(SUM(Val_UMS), 4) AS Val_UMS1, Nat_Tranz, Incoterms, Mod_Transp,
  TRIM(MID(TRIM(VAT_ID & ''), 3)) AS VAT_ID1,
  IIF(TRIM(VAT_ID & '') = '', 'QV', UCASE(LEFT(TRIM(VAT_ID & ''), 2))) AS Country_VAT_ID
FROM Intrastat
GROUP BY Cod_NC, VAT_ID, Tara_Orig, Tara_Dest, Nat_Tranz, Incoterms, Mod_Transp, Tara_Exp, Cod_UMS,
  Anul, Luna, TIP, Cod_Fiscal
ORDER BY MIN(Record_ID)
