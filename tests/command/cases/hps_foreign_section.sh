# A section with another fingerprint contributes nothing; edits of the other section leave it as it is, and it is not edited.
export TOVREN_MODULE_PATH=.
"$SUPPORT/params.py" pgm_flash.ini '' '9095cbfc6f5b69d3eb5d625df882a317\0\0\0' ''
tovren hps spi list | sed -n 2p
tovren hps nand add manufacturer_id=EF device_id=AA flash_byte_size=512
"$SUPPORT/params.py" pgm_flash.ini
tovren hps spi add siid=17EF60 mask=FFFFFF ext_siid=0 ext_mask=0 manufacturer=NOVA name=QXN64 flash_bit_size=64 \
    sector_byte_size=64 page_byte_size=256 bulk_erase_time=100 bulk_erase_interval_wait_time=2 \
    sector_erase_time=2 page_program_time=3000 program_time=1 die_size=1 speed_mode=n \
    byte4_se_opcode=DC byte4_pp_opcode=12 byte4_read_opcode=13
echo "$?"
tovren hps spi remove 0
echo "$?"
tovren params show 1
"$SUPPORT/params.py" pgm_flash.ini
echo x >> pgm_flash.ini
tovren hps nand list | sed -n 2p
tovren hps nand add manufacturer_id=EF device_id=AA flash_byte_size=512
"$SUPPORT/params.py" pgm_flash.ini
