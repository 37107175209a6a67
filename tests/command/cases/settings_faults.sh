# A settings file that is named and cannot be read is wrong usage, whoever names it; one that is to be made may be missing.
attempt() {
    tovren "$@"
    echo "[$*] $?"
}
"$SUPPORT/definition.py" json > my.json
attempt --settings missing.ini hps list
TOVREN_SETTINGS=missing.ini attempt hps list
TOVREN_SETTINGS=. attempt flash definition check
TOVREN_SETTINGS=. attempt flash define --from my.json --store
TOVREN_SETTINGS='' attempt flash definition check
printf 'A = 1\nB\033]0;title\007\n' > mine.ini
TOVREN_SETTINGS=missing.ini attempt --settings mine.ini flash definition check
TOVREN_SETTINGS=made.ini attempt flash define --from my.json --store
TOVREN_SETTINGS=made.ini attempt flash definition check > /dev/null
TOVREN_SETTINGS=missing.ini attempt flash define --remove
ls
