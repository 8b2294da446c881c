extends SCSetJointAction
## Connect two bodies with a joint, let them go again, or change one of the joint's values while the game runs. A
## trailer that is coupled, a rope that is cut, a motor that starts.
