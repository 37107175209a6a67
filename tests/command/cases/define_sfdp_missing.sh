# What neither table nor record tells is listed with its question, its limits and the option that gives it.
database "$DATA/chain.csv"
export TOVREN_DB_ROOT=db
python3 "$SUPPORT/sfdp.py" image 'XT25F128B' > nine_dwords.bin
tovren flash define --sfdp nine_dwords.bin --id 0B4018 --store
echo "$?"
python3 "$SUPPORT/sfdp.py" image 'MX25U25635F' > limits.bin
tovren flash define --sfdp limits.bin --id C22539 --member device_name=MX25U25635F 2>&1 | grep -A3 'no definition'
TOVREN_DB_ROOT=nothing tovren flash define --sfdp limits.bin --id C22539 2>&1 | tail -2
ls
