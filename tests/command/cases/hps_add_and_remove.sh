# An added flash stands first in the list of a new process, ahead of those that were added before; the other sections keep
# their bytes.
export TOVREN_MODULE_PATH=.
add() {
    tovren hps spi add siid=17EF60 mask=0xFFFFFF ext_siid=0 ext_mask=0 manufacturer=NOVA name="$1" flash_bit_size=64 \
        sector_byte_size=64 page_byte_size=256 bulk_erase_time=100 bulk_erase_interval_wait_time=2 \
        sector_erase_time=2 page_program_time=3000 program_time=1 die_size=1 speed_mode=y \
        byte4_se_opcode=DC byte4_pp_opcode=12 byte4_read_opcode=13
}
list() {
    tovren --json hps spi list | python3 -c '
import json, sys
for flash in json.load(sys.stdin)[:3]:
    print(flash["index"], flash["origin"], flash["name"], hex(flash["siid"]), flash["flash_bit_size"], flash["speed_mode"])'
}
"$SUPPORT/params.py" pgm_flash.ini 'one' '' 'foreign, and left as it is'
add QXN64
list
tovren hps spi list | sed -n 1,3p
"$SUPPORT/params.py" pgm_flash.ini
add QXN65
list
tovren hps spi remove 1
list
add QXN66 > /dev/null
tovren hps spi remove qxn65
list
tovren --json hps spi remove 0
list
"$SUPPORT/params.py" pgm_flash.ini
