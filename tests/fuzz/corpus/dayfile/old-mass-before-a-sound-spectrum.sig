#All measured records
#Result spectrum: "t" dif mass (1), rad (nm) 1,2
#Result spectrum: "s" dif num (1/cm^3), rad (nm) 1,2
begintime,endtime,opmode,x
2009-05-01 10:00:00,2009-05-01 10:00:30,ions,1,2,3,4,10,20,3,4
