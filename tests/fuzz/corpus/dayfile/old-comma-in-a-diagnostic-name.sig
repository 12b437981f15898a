#Only records
#Operating modes: ions, particles
#Diagnostics: "flow, upper",temp
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8,9
