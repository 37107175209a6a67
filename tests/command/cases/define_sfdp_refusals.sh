# Wrong usage ends with 2, an image or a file that is refused with 3.
database "$DATA/chain.csv"
export TOVREN_DB_ROOT=db
python3 "$SUPPORT/sfdp.py" image W25Q64JV > table.bin
attempt() {
    echo "[$*]"
    tovren flash define "$@" 2>&1
    echo "$?"
}
attempt --sfdp table.bin
attempt --sfdp table.bin --id EF40
attempt --sfdp table.bin --id EF4G17
attempt --sfdp table.bin --id EF401
attempt --sfdp table.bin --id EF4017 --from my.json
attempt --sfdp table.bin --id EF4017 --remove
attempt --id EF4017
attempt --member die_count=1
attempt --sfdp table.bin --id EF4017 --member die_count
attempt --sfdp table.bin --id EF4017 --member diecount=1
attempt --sfdp table.bin --id EF4017 --member velkor_id=32
attempt --sfdp table.bin --id EF4017 --member die_count=1 --member die_count=2
attempt --sfdp missing.bin --id EF4017
attempt --sfdp . --id EF4017
for image in all_ff bfpt_cut_by_one_byte density_all_ones; do
    python3 "$SUPPORT/sfdp.py" image $image > broken.bin
    attempt --sfdp broken.bin --id EF4017 --store
done
echo '00000000: 5346 44zz 0001' | attempt --sfdp - --id EF4017
tovren --json flash define --sfdp broken.bin --id EF4017 2> /dev/null
ls
