#All measured records
#Possible operating modes: ions, , particles
#Something else: 1, 2
#Diagnostic values and voltages: "flow", temp,,
#Raw electrometer currents: 3 (pos 0 1 , neg 2 2)
#Electrometer currents: 3
#Result spectrum: "ions neg" dif num (1e+06/m^3), mob (0.0001/kg*s^2*A) 0.5, 0.25
#Result spectrum: "size" density num (1/cm^3) , rad (1e-09*m) 1.1
begintime,endtime,opmode,x
2009-05-01 10:00:00,2009-05-01 10:00:30,particles,1,2,3,4, 5,6,x,10,20,,0.5,,2,100,200,3,4,7,0.5
2009-05-01 10:01:00,2009-05-01 10:01:30,other,,,,,,,,,,,,,,100,200,3,4,,0.5
