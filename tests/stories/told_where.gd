extends Story
## A warning says where it happened: on which machine, in which state, at which place of the scene, and what was looked for.


func test_a_warning_names_the_state_the_scene_s_path_and_the_whole_path() -> void:
	var house := add(Node.new(), "House")
	var door := body("Door", Vector2.ZERO, house)
	var hide := kind(SCSetVisibleAction, {"node_path": ^"../../Yard/Panel"})
	play(hide, {}, {"under": door, "name": "Lock"})
	expect_warning("Set Visible on Lock (state Work, in /root/Stage/House/Door): there is no node at ../../Yard/Panel. Pick one under Node Path.")


func test_a_branch_is_told_by_its_own_state() -> void:
	var owner := machine([state("Day", [], {}, {"parallel": {"Eyes": [state("Look", [kind(SCLookAtAction)])], "Legs": [state("Walk")]}})], {"name": "Guard", "under": body("Post")})
	start(owner)
	expect_warning("Look At on Guard (state Look, in /root/Stage/Post): it has no node to face")
