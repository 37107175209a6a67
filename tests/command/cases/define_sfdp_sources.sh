# Where each member comes from stands on standard error, the encoded text alone on standard output.
database "$SUPPORT/../../../data/flash.csv"
export TOVREN_DB_ROOT=db
python3 "$SUPPORT/sfdp.py" image 'MT25QU256A' > mt.bin
tovren flash define --sfdp mt.bin --id 20BB1A --member device_name=mt25qu512b --member device_bit_size=512 \
    --member bulk_erase_time=900 > text
echo "$?"
tovren flash definition decode "$(< text)" | cut -d'#' -f1
# Records of another density give neither the times nor the name, and one of no known voltage no voltage.
python3 "$SUPPORT/sfdp.py" image 'W25Q64JWM' > w25.bin
tovren flash define --sfdp w25.bin --id EF8017 2>&1 > text | sed -n '1,3p;18,28p;34p'
wc -l < text
tovren flash define --sfdp w25.bin --id EF8018 --member device_bit_size=128 --member device_name=W25M128 2>&1 | tail -20
# A chip erase of a smaller chip says nothing of a larger one.
python3 "$SUPPORT/sfdp.py" image 'W25Q256' > w256.bin
tovren flash define --sfdp w256.bin --id EF4021 --member device_name=W25Q01JV --member extended_mode=y \
    --member device_bit_size=1024 2>&1 | grep -E '^ *(bulk_erase_time|die_count)|^tovren'
