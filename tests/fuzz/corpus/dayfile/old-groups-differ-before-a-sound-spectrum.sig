#All measured records
#Electrometer currents: 1 (pos 0 0, pos 0 1)
#Result spectrum: "s" dif num (1/cm^3), rad (nm) 1,2
begintime,endtime,opmode,x
2009-05-01 10:00:00,2009-05-01 10:00:30,ions,1,2,10,20,3,4
