# Whatever is written into a full disk: the exit code says so, and nothing that was to be stored is lost for it.
attempt() {
    tovren "$@" > /dev/full
    echo "[$*] $?"
}
"$SUPPORT/definition.py" json > my.json
answers() {
    printf '%s\n' 1 nova qxn 19 2 60 1 ef 0 n n n y n n 1 256 64 100 2 3000 1c 1c 0 -1 5 y 3.3v
}
attempt --help
attempt --version
attempt flash define --help
attempt flash define --from my.json
attempt flash define < <(answers)
attempt flash define < <(echo 1)
attempt flash define --json < <(answers) 2> /dev/null
attempt flash define --store --from my.json
attempt flash definition check
attempt flash definition encode "@NOVA@QXN@#TAG;"
attempt params show
attempt hps list
attempt hps spi list --json
(
    trap '' PIPE
    tovren --help | head -1
    echo "${PIPESTATUS[0]}"
)
ls
