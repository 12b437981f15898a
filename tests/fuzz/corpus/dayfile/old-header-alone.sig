#Only records
#Operating modes: ions, particles
#Diagnostics: "flow", temp
