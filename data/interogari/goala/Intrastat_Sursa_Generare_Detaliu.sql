SELECT TIP, Cod_Fiscal, Anul, Luna, Record_ID AS Pozitia, Cod_NC, Descriere_NC AS Descriere1,
  Tara_Orig, Tara_Exp, Tara_Dest,
  Val_Fiscala AS Val_Fiscala1, Val_Stat AS Val_Stat1, Net AS Net1, Cantitate AS Cantitate1,
  Cod_UMS, Val_UMS AS Val_UMS1, Nat_Tranz, Incoterms, Mod_Transp,
  TRIM(MID(TRIM(VAT_ID & ''), 3)) AS VAT_ID1,
  IIF(TRIM(VAT_ID & '') = '', 'QV', UCASE(LEFT(TRIM(VAT_ID & ''), 2))) AS Country_VAT_ID
FROM Intrastat
ORDER BY Record_ID
