# What the how-to shows is what its commands print.
tree=$(realpath "$SUPPORT/../../..")
database "$tree/data/flash.csv"
cp "$tree/data/flash.csv" "$tree/data/flash_shared_ids.csv" db/programmer
export TOVREN_DB_ROOT=db
diff "$tree/docs/howto/why_this_answer.md" <("$SUPPORT/howto.py" "$tree/docs/howto/why_this_answer.md") && echo same
