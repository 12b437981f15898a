#Only records
#Operating modes: ions, particles
#Result spectrum: "t" dif num (1/cm^3), mob (parsec) 1,2
#Result spectrum: "s" dif num (1/cm^3), rad (nm) 1,2
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,1,2,3,4,10,20,3,4
