extends SCMoveToAction
## Move a node to a place over time, then finish. A lift, a sliding door, a coin that flies to the counter, a menu
## that slides in. It goes through walls; Move Character and Navigate To do not.
