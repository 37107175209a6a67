# What is no table, or one that contradicts itself: the reason, the byte and what to do.
refused() { # NAME of a broken table
    python3 "$SUPPORT/sfdp.py" image "$1" | tovren sfdp show -
    echo "$1: $?"
}
for name in all_ff all_00 signature_reversed one_byte_late sfdp_major_0 bfpt_cut_by_one_byte density_all_ones \
    one_opcode_two_sizes ff84_past_end board_file_header_as_bfpt; do
    refused "$name"
done
tovren sfdp show - < /dev/null
echo "empty: $?"
python3 "$SUPPORT/sfdp.py" image all_ff | tovren sfdp show - --json
echo "json: $?"
tovren sfdp show
echo "no file: $?"
