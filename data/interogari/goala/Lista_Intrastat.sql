SELECT TIP, 'Noua' AS Tip_Declaratie, Anul, Luna,
  SUM(Valoare_Valuta) AS Total_Valoare_Valuta, SUM(Val_Fiscala) AS Total_Val_Fiscala,
  SUM(Net) AS Total_Net, COUNT(*) AS Pozitii
FROM Intrastat
GROUP BY TIP, Anul, Luna
