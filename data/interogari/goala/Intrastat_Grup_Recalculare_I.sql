SELECT TIP, Cod_Fiscal, Anul, Luna, Incoterms, Mod_Transp, Nat_Tranz, Tara_Exp AS Tara,
  CDBL(0) AS Procent
FROM Intrastat
GROUP BY TIP, Cod_Fiscal, Anul, Luna, Incoterms, Mod_Transp, Nat_Tranz, Tara_Exp
