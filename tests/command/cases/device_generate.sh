# A database and what is said about it: families without a record, where the messages go.
python3 "$SUPPORT/device_csv.py" > devices.csv
tovren device generate --product-root none devices.csv out.pcf
echo "$?"
cmp <(head -c 8 out.pcf) <(printf PGMIO_DM) && echo "a device database"
python3 "$SUPPORT/device_csv.py" 2:family= 2:pcf=SPARE > missing.csv
mkdir outbox
tovren device generate --set TOVREN_MAIL_OUTBOX=outbox --product-root none missing.csv out.pcf 2> said
echo "$?: $(grep -c . said) line, $(ls outbox | wc -l) message"
tr -d '\r' < outbox/* | grep -E '^(Subject|Missing|Forcing|Please)'
tovren device generate missing.csv --product-root none --json out.pcf 2> /dev/null
cp out.pcf first.pcf
tovren device generate missing.csv --product-root none out.pcf > /dev/null 2>&1
cmp first.pcf out.pcf && echo "the same bytes again"
