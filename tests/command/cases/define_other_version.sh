# A list that was made under another version text is left out of a load, and the check says why.
database "$DATA/chain.csv"
export HOME=home
"$SUPPORT/definition.py" json > my_flash.json
export TOVREN_DB_ROOT=db
TOVREN_VERSION_TEXT=1.0 tovren flash define --from my_flash.json --store
TOVREN_VERSION_TEXT=1.0 tovren flash identify EF6019 | sed -n 2p
TOVREN_VERSION_TEXT=2.0 tovren flash identify EF6019 2>&1 | sed -n 2,3p
TOVREN_VERSION_TEXT=2.0 tovren flash definition check 2>&1 > check.txt | sed 's/Build [0-9]*/Build N/'
echo "${PIPESTATUS[0]}"
sed -n 's/Build [0-9]*/Build N/; /^TOVREN/p; s/ [A-Z]\{16\}/ TAG/g; /^Tag/p; /^A load/p' check.txt
TOVREN_VERSION_TEXT=1.0 tovren flash definition check | tail -1
