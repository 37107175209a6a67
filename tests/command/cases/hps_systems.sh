# The two systems, and making one of them current.
tovren hps list
tovren --json hps list
attempt() {
    tovren hps current "$@"
    echo "[$*] $?"
}
attempt 0x1A5C40A9
attempt --json 442245289
attempt 0x1A5C40A8
attempt --json 1
attempt 1A5C40A9
attempt 0x100000000
attempt ''
attempt
