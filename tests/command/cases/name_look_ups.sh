# One answer for people, an object with --json; a miss ends with 1 and names what is near.
attempt() {
    tovren "$@"
    echo "[$*] $?"
}
attempt name full ba50af672
attempt name full ba50af672 --json
attempt name full ba50af67
attempt name full ba50af67 --json
attempt name full ''
attempt name of-pcf ba50x
attempt name of-pcf BA50X --json
attempt name of-pcf BA50XX
attempt name of-device ba50a
attempt name of-device BA50A --json
attempt name of-device BA50AA --json
attempt name of-device ''
attempt name full
attempt name of-pcf a b
attempt name explain
attempt name
# Blanks around a name and its letter case do not count.
tovren name of-pcf " qx24x"
tovren name full " qx24af484c6 "
tovren name of-device " qx24a "
tovren enum check 1 " cfm0"
