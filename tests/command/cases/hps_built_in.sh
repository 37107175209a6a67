# The built-in flashes, in order.
export TOVREN_MODULE_PATH=.
tovren hps spi list
tovren hps nand list
tovren --json hps spi list | python3 -c '
import json, sys
flashes = json.load(sys.stdin)
print(len(flashes), {flash["origin"] for flash in flashes})
print(json.dumps(flashes[18]))'
tovren --json hps nand list | sed -n 2p
ls
