# Each real table makes a definition, by which the chip's own identification is answered.
database "$DATA/chain.csv"
export TOVREN_DB_ROOT=db
"$SUPPORT/sfdp_define.py"
