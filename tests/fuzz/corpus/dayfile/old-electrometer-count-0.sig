#Only records
#Operating modes: ions, particles
#Electrometer currents: 0
#Raw electrometer currents: 0 ()
#Diagnostics: "flow", temp
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8
