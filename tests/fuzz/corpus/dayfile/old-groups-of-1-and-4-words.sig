#Only records
#Operating modes: ions, particles
#Electrometer currents: 2 (pos  0	0,, neg 1 1 1, )
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,1,2,1,1
