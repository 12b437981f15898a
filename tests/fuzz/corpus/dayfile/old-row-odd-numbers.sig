#Only records
#Operating modes: ions, particles
#Diagnostics: "flow", temp
#Result spectrum: "s" dif num (1/cm^3), rad (nm) 1,2
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions, 7 ,INF, 10,2e1,+3,.4
2019-09-12 12:05:00,2019-09-12 12:06:00,ions,nan,1e999,ten,20,3,4
2019-09-12 12:06:00,2019-09-12 12:07:00,ions,0x1,1 000,inf,nan,3,4
