# Every fault of an added flash by parameter and reason, all in one run; the texts are those of the library's conversion.
export TOVREN_MODULE_PATH=.
good=(siid=17EF60 mask=FFFFFF ext_siid=0 ext_mask=0 manufacturer=NOVA name=QXN64 flash_bit_size=64
    sector_byte_size=64 page_byte_size=256 bulk_erase_time=100 bulk_erase_interval_wait_time=2
    sector_erase_time=2 page_program_time=3000 program_time=1 die_size=1 speed_mode=n
    byte4_se_opcode=DC byte4_pp_opcode=12 byte4_read_opcode=13)
attempt() { # a good flash with these in place of its own
    local pairs=("${good[@]}")
    for pair in "$@"; do
        mapfile -t pairs < <(printf '%s\n' "${pairs[@]}" | grep -v "^${pair%%=*}=")
    done
    tovren hps spi add "${pairs[@]}" "$@" 2> err
    echo "[$*] $?"
    grep -v '^tovren\|--help' err
}
attempt siid=17EF6G mask=100000000 ext_siid=-2 ext_mask=0XFF
attempt flash_bit_size=0 sector_byte_size=1025 die_size=3 speed_mode=yes
attempt flash_bit_size=4097 sector_byte_size=0 die_size=0 speed_mode=
attempt flash_bit_size=-1 sector_byte_size=-1 die_size=-1 page_byte_size=100h
attempt bulk_erase_time=1.5 sector_erase_time=4294967296 page_program_time=FF program_time=-2
attempt byte4_se_opcode=DCG
attempt nonsense=1 siidd=2 novalue =3
tovren hps spi add "${good[@]}" siid=1
tovren hps spi add siid=1 novalue
tovren hps nand add manufacturer_id=1 device_id=2 flash_byte_size=17592186044416
tovren --json hps nand add manufacturer_id=G device_id=2 2> /dev/null
tovren hps nand add
echo "$?"
ls
attempt siid=-1 flash_bit_size=4096 sector_byte_size=0x400 die_size=4 page_byte_size=0x100 name= bulk_erase_time=
tovren --json hps spi list | sed -n 2p
