# A word or an option that is near to one that there is.
attempt() {
    tovren "$@" 2>&1
    echo "[$*] $?"
}
attempt hps sip list
attempt hps nnad list
attempt flash define --form my.json
attempt flash define --sotre
attempt --jsn flash list
attempt flash definition chek
attempt params sho
attempt parms show
attempt flash list --frobnicate
attempt flash define my.json
