#Only records
#Operating modes: ions, particles
#Diagnostics: flow
#All measured records
#Diagnostics: "flow", temp
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8
