SELECT TIP, Cod_Fiscal, Anul, Luna, Cod_NC,
  SUM(Cantitate) AS TOTAL_Cantitate, SUM(Valoare_Valuta) AS TOTAL_Valoare_Valuta,
  SUM(Val_Fiscala) AS TOTAL_Val_Fiscala, MAX(Moneda) AS Moneda,
  CBOOL(0) AS Redistribuie, CDBL(0) AS Total_GreutateNeta
FROM Intrastat
GROUP BY TIP, Cod_Fiscal, Anul, Luna, Cod_NC
