#Only records
#Operating modes: ions, particles
#Diagnostics: "flow", temp
begin_time,end_time,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8
