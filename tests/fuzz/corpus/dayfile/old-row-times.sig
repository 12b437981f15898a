#Only records
#Operating modes: ions, particles
#Diagnostics: "flow", temp
begintime,endtime,opmode,x
,2019-09-12 12:01:00,ions,1,2
2019-09-12 12:01:00,,ions,3,4
now,then,ions,5,6
 2019-09-12 12:03:00.5+02:00 , 2019-09-12 12:04:00.5+02:00 ,ions,7,8
