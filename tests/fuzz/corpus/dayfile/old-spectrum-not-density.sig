#Only records
#Operating modes: ions, particles
#Diagnostics: "flow", temp
#Electrometer currents: 2 (pos 0 0, neg 1 1)
#Result spectrum: "ions neg" frac num (1/cm^3), mob (cm^2/s/V) 1e-4,2e-4
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8,1,2,0.5,3,10,20
