#Only records
#Operating modes: ions, particles
#Diagnostics: "flow", temp
#Result spectrum: "s" dif num (1/cm^3), rad (nm) 1,2
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8,10,20,3,4
