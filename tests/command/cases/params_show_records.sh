# The HPS sections are shown as records; what is behind the last whole one is named.
export TOVREN_MODULE_PATH=.
nand=79b884d001a0760b19c475920183ef66
one='\x2C\0\0\0\x68\0\0\0\0\0\0\0\x01\0\0\0'
"$SUPPORT/params.py" pgm_flash.ini '' '' "$nand$one\x98\0\0\0\x01\0\0\0\0\0\x10\0\0\0\0\0"
tovren params show 2
tovren --json params show 2
"$SUPPORT/params.py" pgm_flash.ini '' '' "$nand${one}cut short"
tovren params show 2 | tail -2
tovren hps nand list | sed -n 2,3p
"$SUPPORT/params.py" pgm_flash.ini '' '' "$nand"
tovren params show 2
tovren hps nand list | sed -n 2p
