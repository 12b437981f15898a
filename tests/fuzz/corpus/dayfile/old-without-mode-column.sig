#Only records
#Operating modes: ions
#Diagnostics: a
begintime, endtime ,a
2009-05-01 10:00:00,2009-05-01 10:00:30,1
2009-05-01 10:01:00,2009-05-01 10:01:30,2,
