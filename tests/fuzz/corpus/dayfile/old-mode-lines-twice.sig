#Only records
#Operating modes: ions, particles
#Electrometer currents: 2 (pos 0 0, neg 1 1)
#Operating modes: offset,ions, fog
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00, fog ,1,2,0.5,3
2019-09-12 12:02:00,2019-09-12 12:03:00,"offset,ions",1,2,0.5,3
2019-09-12 12:04:00,2019-09-12 12:05:00,offset,1,2,0.5,3
