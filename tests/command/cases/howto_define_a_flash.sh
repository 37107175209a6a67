# What the how-to shows is what its commands print, but for what the version decides.
tree=$SUPPORT/../../..
database "$tree/data/flash.csv"
export TOVREN_DB_ROOT=$PWD/db
plain() {
    sed -E 's/\b[A-Z]{16}\b/TAG/g; s/Build [0-9]+/Build N/'
}
mkdir page && cd page || exit
diff <(plain < "$tree/docs/howto/define_a_flash.md") <("$SUPPORT/howto.py" "$tree/docs/howto/define_a_flash.md" | plain) && echo same
ls
