#Only records
#Operating modes: ions, particles
#Electrometer currents: 4 (a -1 2, b 3 1, c 0 4, d 0 99999999999, e one two, f 2 1, g 1 2147483647, h 0 3, i 3 3)
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,1,2,3,4,1,1,1,1
