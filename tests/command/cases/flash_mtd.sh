# The serial flashes below a sysfs that is laid out as the kernel does it.
flash() { # DEVICE ID NAME [IMAGE]
    mkdir -p "sys/devices/soc/$1/spi-nor" sys/bus/spi/devices
    ln -s "../../../devices/soc/$1" "sys/bus/spi/devices/$1"
    echo "$2" > "sys/devices/soc/$1/spi-nor/jedec_id"
    echo "$3" > "sys/devices/soc/$1/spi-nor/partname"
    echo acme > "sys/devices/soc/$1/spi-nor/manufacturer"
    [[ $# -lt 4 ]] || python3 "$SUPPORT/sfdp.py" image "$4" > "sys/devices/soc/$1/spi-nor/sfdp"
}
mtd() { # FOLDER of its device below devices, MTD, SIZE, ERASESIZE [OFFSET]
    mkdir -p "sys/devices/$1/mtd/$2" sys/class/mtd
    ln -s "../../devices/$1/mtd/$2" "sys/class/mtd/$2"
    ln -s ../.. "sys/devices/$1/mtd/$2/device"
    echo nor > "sys/devices/$1/mtd/$2/type"
    echo "data of $2" > "sys/devices/$1/mtd/$2/name"
    echo "$3" > "sys/devices/$1/mtd/$2/size"
    echo "$4" > "sys/devices/$1/mtd/$2/erasesize"
    [[ $# -lt 5 ]] || echo "$5" > "sys/devices/$1/mtd/$2/offset"
}
python3 "$SUPPORT/flash_csv.py" "device_name=QXA" \
    "device_name=QXW memory_id=0x17 memory_type=0x40 mfc_id=0xEF device_bit_size=67108864 bulk_erase_time=280 \
program_utime=4224" "device_name=QXW2 memory_id=0x17 memory_type=0x40 mfc_id=0xEF device_bit_size=67108864" > flash.csv
database flash.csv

echo "# none"
mkdir -p sys/bus/spi/devices
tovren --db-root db flash mtd --sysfs sys
echo "$?"
tovren --db-root db flash mtd --sysfs sys --json
tovren --db-root db flash mtd --sysfs missing
echo "$?"

echo "# a whole flash, and one in two partitions"
flash spi0.0 ef4017 qxw W25Q64JV
mtd soc/spi0.0 mtd0 8388608 4096
mtd soc/spi0.0 mtd0ro 8388608 4096
flash spi0.1 20ba181000 qxa
mtd soc/spi0.1 mtd1 1048576 65536 0
mtd soc/spi0.1 mtd2 15728640 65536 1048576
mkdir -p sys/devices/soc/spi3.0
ln -s ../../../devices/soc/spi3.0 sys/bus/spi/devices/spi3.0
tovren --db-root db flash mtd --sysfs sys
echo "$?"

echo "# partitions below the whole flash"
mkdir -p sys/devices/soc/spi0.0/mtd/mtd0
mtd soc/spi0.0/mtd/mtd0 mtd3 4096 4096 0
tovren --db-root db flash mtd --sysfs sys --json
echo "$?"

echo "# an unknown one, one whose size is another, one that cannot be read, one beside SPI"
flash spi1.0 c22019 mx25 MX25L25645G
mtd soc/spi1.0 mtd4 33554432 4096
flash spi1.1 20ba18 qxa W25Q64JV
mtd soc/spi1.1 mtd5 8388608 131072
flash spi2.0 zz nothing all_ff
flash spi10.0 c22533 old
mtd parallel mtd6 8388608 131072
mtd soc/spi10.0 mtd7 many 4096
content() { find sys -type f -exec cksum {} + | sort | cksum; }
before=$(content)
tovren --db-root db flash mtd --sysfs sys
echo "$?"
[[ $before == "$(content)" ]] && echo "nothing is written"
mv sys "my sys"
tovren --db-root db flash mtd --sysfs "my sys" 2>&1 | grep define
