# What a flash does answer is no fault, whatever it looks like.
python3 "$SUPPORT/flash_csv.py" "memory_id=0xFF memory_type=0xFF mfc_id=0xFF" > csv
database csv
tovren --db-root db flash identify FFFFFF
