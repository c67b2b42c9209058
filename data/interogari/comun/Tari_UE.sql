SELECT COD_TARA, Tara_DESC FROM UE_Tari
UNION ALL SELECT 'EL', 'Grecia (prefix TVA)'
UNION ALL SELECT 'QV', 'Partener fara cod TVA'
