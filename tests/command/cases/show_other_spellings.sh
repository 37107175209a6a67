# A name in another maker's spelling: what it means, and what is written otherwise. What means nothing is not guessed at.
python3 "$SUPPORT/flash_csv.py" device_name={QX25L256G,QX25L256,QX10-A,QXQ128JV,QX25L2} "device_name=QX99M ini=LAB" \
    "device_name=QX10-A default_dev=FALSE" > csv
database csv
attempt() {
    tovren --db-root db flash show "$@" 2>&1
    echo "$?"
}
echo "blanks, dashes, underscores:"
attempt 'QX 25L-256G'
attempt 'QX10A'
attempt 'qx_10_a'
echo "letters for digits:"
attempt 'QXQI28JV'
echo "package, grade and packing behind it; the longest name counts, and a number does not go on:"
attempt 'QX25L256GM2I-08G'
attempt 'qx25l256 z2i'
attempt 'QX25L2567'
attempt 'QX25L256G1'
echo "that may make it another one:"
attempt 'QX25L256HM2I'
echo "the maker in front:"
attempt 'acme QX25L256'
attempt 'ACME:QX25L256GM2I-08G'
attempt 'ACME QX-99M'
attempt 'ACME'
echo "hidden:"
attempt 'QX-99M'
echo "no names:"
attempt 20BA18
attempt 3
attempt 99
tovren --db-root db --json flash show 'QX 25L-256G'
