# Everything that a table says, for people and as JSON.
show() {
    python3 "$SUPPORT/sfdp.py" image "$1" > table
    echo "# $1"
    tovren sfdp show table
}
show MX25L25645G
show MX25L25635E
show IS25WP256
show "MT35XU01GBBA"
show no_polling
python3 "$SUPPORT/sfdp.py" agrees tovren sfdp show --json -
