SELECT TIP, Cod_Fiscal, Anul, Luna, Incoterms, Tara_Dest, Mod_Transp,
  SUM(Cantitate) AS TOTAL_Cantitate, SUM(Valoare_Valuta) AS TOTAL_Valoare_Valuta,
  SUM(Val_Fiscala) AS TOTAL_Val_Fiscala, SUM(Net) AS TOTAL_Net, MAX(Moneda) AS Moneda,
  CBOOL(0) AS Redistribuie, CDBL(0) AS Total_Transport_Suma, '' AS Transport_Moneda,
  CDBL(0) AS Transport_Curs, '' AS Transp_Document, MAX(Tara_Exp) AS Tara_Exp
FROM Intrastat
GROUP BY TIP, Cod_Fiscal, Anul, Luna, Incoterms, Tara_Dest, Mod_Transp
