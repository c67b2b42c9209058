SELECT TIP, 'Noua' AS Tip_Declaratie, Anul, Luna,
  ROUND(SUM(Valoare_Valuta), 4) AS Total_Valoare_Valuta,
  ROUND(SUM(Val_Fiscala), 4) AS Total_Val_Fiscala, ROUND(SUM(Net), 4) AS Total_Net, COUNT(*) AS Pozitii
FROM Intrastat
GROUP BY TIP, Anul, Luna
