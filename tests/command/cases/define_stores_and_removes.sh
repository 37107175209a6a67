# A flash that the table does not know is identified after it was defined, and no longer after its setting was removed.
database "$DATA/chain.csv"
export HOME=home
"$SUPPORT/definition.py" json > my_flash.json
export TOVREN_DB_ROOT=db
tovren flash identify EF6019 | tail -1
tovren flash define --from my_flash.json --store
tovren flash identify EF6019
tovren flash list | head -2
tovren flash list --all | head -2
tovren flash show --index 0 | sed -n '2,4p'
tovren flash define --remove
tovren flash identify EF6019 | tail -1
tovren flash define --remove
echo "$?"
