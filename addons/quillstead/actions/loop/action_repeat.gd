extends SCRepeatAction
## Do something a set number of times, such as fire three shots, spawn five coins or flash the screen twice.
