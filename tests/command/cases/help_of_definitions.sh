# What a newcomer reads first.
for verb in 'flash define' 'flash definition' 'flash definition check' 'params' 'params set' 'hps' 'hps spi list' 'hps nand add' 'hps current'; do
    # shellcheck disable=SC2086
    tovren $verb --help
    echo "[$verb] $?"
done
