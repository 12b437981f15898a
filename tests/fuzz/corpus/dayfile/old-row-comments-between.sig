#Only records
#Operating modes: ions, particles
#Diagnostics: "flow", temp
begintime,endtime,opmode,x
2019-09-12 12:00:00,2019-09-12 12:01:00,ions,7,8
# a remark

2019-09-12 12:05:00,2019-09-12 12:06:00,ions,9,8
