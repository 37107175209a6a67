{ echo; echo "  	 "; sed 's/$/\r\n/' "$DATA/chain.csv"; echo; } > blanks.csv
tovren flash generate "$DATA/chain.csv" plain.pcf
tovren flash generate blanks.csv blanks.pcf
cmp plain.pcf blanks.pcf
