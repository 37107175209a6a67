# Sections are stored, shown and removed, each without a change to the others. The file is read by a program of the tests.
export TOVREN_MODULE_PATH=.
printf 'seventeen bytes!\377' > bytes
printf '9095cbfc6f5b69d3eb5d625df882a316\001' > spi
tovren params show
tovren params set 0 bytes
tovren params set 'hps spi' spi
tovren params set 'HPS NAND' bytes
"$SUPPORT/params.py" pgm_flash.ini
tovren params show 'sfl flash'
tovren params show 1
tovren params show 2
tovren params set 0 spi > /dev/null
tovren params remove 1
tovren --json params remove 2
"$SUPPORT/params.py" pgm_flash.ini
tovren --json params show 0
tovren --json params show | tr -d ' \n'; echo
tovren --json params set 0 bytes
TOVREN_MODULE_PATH='' tovren --set TOVREN_MODULE_PATH="$PWD" params show 0 | head -2
