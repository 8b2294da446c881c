extends SCHurtAction
## Take health off something without anything touching it. It is for poison, hunger, a curse or a fall. What it
## hurts has a Hurt Box, which sees to defence and to the events HURT and DIED.
