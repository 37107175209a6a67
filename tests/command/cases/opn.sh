# Ordering indexes and hashes, there and back; what does not apply is null.
attempt() {
    tovren "$@"
    echo "[$*] $?"
}
attempt opn of ' ba50af672i7 '
attempt opn of ba50af672i7 --json
attempt opn name 5
attempt opn name 5 --json
attempt opn hash Ba50Af672i7 --json
attempt opn find 0xfe5d1ddf1a88 --json
attempt opn find FFFFfe5d1ddf1a88
attempt opn find fe5d1ddf1a89 --json
attempt opn of BA50AF672I7Q
attempt opn of BA50AF672I7Q --json
attempt opn name 0 --json
attempt opn name 18829 --json
attempt opn name 18830
attempt opn name 4294967296
attempt opn name five
attempt opn find 0x
attempt opn find fe5d1ddf1a88fe5d1
attempt opn find -1
attempt opn hash ''
attempt opn of
attempt opn
