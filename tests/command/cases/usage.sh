# Wrong usage ends with 2: one line that says what is wrong, and where help is.
attempt() {
    tovren "$@"
    echo "[$*] $?"
}
attempt flash
attempt flsh list
attempt flash lst
attempt flash frobnicate
attempt flash list surplus
attempt flash list list
attempt flash list --frob
attempt --frob
attempt --json
attempt flash generate
attempt flash generate a
attempt flash generate a b c
attempt flash list --set
attempt flash list --db-root
attempt flash list --json=perhaps
attempt --set PGM flash list
attempt --set =on flash list
attempt --debug 4 flash list
attempt --debug -1 flash list
attempt --debug high flash list
attempt --settings missing.ini flash list
attempt --settings . flash list
attempt --db-root '' flash list
