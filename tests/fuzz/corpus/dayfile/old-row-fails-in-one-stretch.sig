#All measured records
#Result spectrum: "s" dif num (1/cm^3), rad (nm) 1
#Diagnostics: flow
#Result spectrum: "t" dif num (1/cm^3), rad (nm) 2
begintime,endtime,opmode,x
2009-05-01 10:00:00,2009-05-01 10:00:30,ions,bad,1,42,7,worse
2009-05-01 10:01:00,2009-05-01 10:01:30,ions,1,1,43,7,8
