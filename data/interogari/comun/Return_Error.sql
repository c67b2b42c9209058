PARAMETERS [Numar] Long;
SELECT Descriere_Eroare FROM Erori WHERE Nr_Eroare = [Numar]
