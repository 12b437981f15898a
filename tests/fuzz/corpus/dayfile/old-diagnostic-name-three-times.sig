#Only records
#Operating modes: ions, particles
#Diagnostics: "flow",flow, flow ,temp
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,1,2,3,4
