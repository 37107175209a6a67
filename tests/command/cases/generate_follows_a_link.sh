mkdir real
tovren flash generate "$DATA/chain.csv" real/file.pcf
ln -s real/file.pcf link.pcf
tovren flash generate "$DATA/switches.csv" link.pcf
readlink link.pcf
ls real
