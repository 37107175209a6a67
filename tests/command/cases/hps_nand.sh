# NAND flashes of the user's own.
export TOVREN_MODULE_PATH=.
tovren hps nand add manufacturer_id=EF device_id=0xAA flash_byte_size=512
tovren --json hps nand add MANUFACTURER_ID=98 device_id=1 flash_byte_size=0x10
tovren hps nand list | head -4
"$SUPPORT/params.py" pgm_flash.ini
tovren hps nand remove 1
tovren hps nand list | head -3
attempt() {
    tovren hps nand "$@"
    echo "[$*] $?"
}
attempt remove 1
attempt remove 11
attempt remove name
attempt --json remove 11
attempt remove
