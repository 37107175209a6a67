# Every fault of a description that has twenty different ones, in one run; the same as JSON.
python3 "$SUPPORT/device_csv.py" types:dummy_word=DWORD \
    names:cmp_end_padding_alignement=cmp_end_padding_alignment \
    2:family=QUARN-2X 3:device=QA02A 3:family= 4:part=QA02AE144 4:family= 5:ekp_alg_family= \
    6:cmp_fbgen_start_block=CFG_BLOCK_NOWHERE 7:support_cpf=true 8:dummy_byte=12ms 9:dummy_dword=4294967296 \
    10:aes_n_fuse_bits=-1 11:dummy_byte=256 12:dummy_word=0x10000 "13:cfg_dev=$(printf 'x%.0s' {1..256})" \
    "14:+NOVREN-6,,," "15:+$(printf ',%.0s' {1..86})" 16:pcf=SPARE 17:family= 75:pcf=qx_cfg_std \
    "20:family=VELDRA-2L$(printf ' %.0s' {1..10240})" 78:- > devices.csv
tovren check devices devices.csv
echo "$?"
tovren --json check devices devices.csv > faults.json
echo "$?"
python3 -c '
import json
faults = json.load(open("faults.json"))
print(len(faults), sorted({fault["severity"] for fault in faults}))
for fault in faults:
    print(fault["file"], fault["line"], fault["column"], fault["member"], str(fault["text"])[:20])'
