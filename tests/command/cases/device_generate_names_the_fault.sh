# Each of these is refused with its row, its column and what stood there; the older file stays.
attempt() {
    tovren device generate --product-root "${3-none}" "$1" "${2-out.pcf}"
    echo "$1: $?"
}
change() {
    python3 "$SUPPORT/device_csv.py" "${@:2}" > "$1"
}
echo old > out.pcf
change name.csv 5:family=VELDRA
change several.csv 2:support_cpf=true 3:+a,b 4:default_prog_mode= 5:dummy_byte=64K
change type_row.csv types:dummy_word=DWORD
change name_row.csv names:cmp_end_padding_alignement=cmp_end_padding_alignment
change short.csv 78:-
change no_generic.csv 1:family= 1:pcf=SPARE
change text.csv "8:cfg_dev=$(printf 'x%.0s' {1..256})"
change good.csv
: > empty.csv
for csv in name several type_row name_row short no_generic text empty; do
    attempt $csv.csv 2>&1 | grep -v '^mail to'
done
attempt missing.csv
attempt good.csv no_folder/out.pcf
mkdir -p short/h
printf '// parts\nQA02AE144,QA02A,EQFP,144,-,-,-\n\nQA02AE144,QA02A,EQFP,144,-,-\nQA02AE144\n' > short/h/pgm_parts.txt
attempt good.csv out.pcf short
mkdir -p long/h
printf 'QA02AE144,QA02A,EQFP,144,-,-,-\nx%10240s,\n' '' > long/h/pgm_parts.txt
attempt good.csv out.pcf long
change long.csv "3:family=VELDRA-2L$(printf ' %.0s' {1..10240})"
attempt long.csv out.pcf long
mkdir -p folder/h/pgm_parts.txt
attempt good.csv out.pcf folder
cat out.pcf
