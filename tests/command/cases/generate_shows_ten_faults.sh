python3 "$SUPPORT/flash_csv.py" memory_id=a memory_id=b memory_id=c memory_id=d memory_id=e memory_id=f memory_id=g \
    memory_id=h memory_id=i memory_id=j memory_id=k memory_id=l > many.csv
tovren flash generate many.csv out.pcf
