#Only records
#Operating modes: ions,ions neg" dif num (1/cm^3), mob (cm^2/s/V) 1e-4,2e-4
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ion particles
#Electrometer currents: 2 (pos 0 0, neg 1 1)
#Result spectrum: "ions neg" dif num (1/cm^3), mob (cm^2/s/V) 1e-4,2e-4
# Quilvane records
# opmodes: [ions, particles, offset]
# total electrometers: 2
# electrometer groups: {neg: [1, 1], pos: [0, 0]}
# electrometer names: [e0, e1]
# parameters:
# - temp
# 
begin_t
#Result spectrum: "ions neg" dif num (1/cm^3), mob (cm^2/s/V) 1e-4,2e-4
begintime,endtime,opmode,x
# Quilvane records
# total electrometers: 2
# electrometer names: [e0, e1]
# - {name: flow, humanname: Flow, unit: lpm}
#Electrometer currents: 0