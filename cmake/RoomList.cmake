# The rooms of the house, lowest floor first. This is the one list of them: the build makes a library of each, the
# test "layering" holds every #include against it, the tests are found by it, and docs/architecture.md has to name
# the same rooms and folders.
#
#   room(NAME FOLDER SEES...)   a room sees itself, the rooms that its line names, and what those see
#
# Whoever includes this file says first what room() does.
room(sdk              Engine/sdk)
room(platform         Engine/platform                         sdk)
room(qsamgr           Engine/libs/qsamgr                      sdk)
room(model            Engine/tools/Emberdeck/model            platform)
room(engine           Engine/tools/shared/engine              platform qsamgr)
room(sourcecontrol    Engine/tools/shared/sourcecontrol       platform)
room(formats          Engine/tools/Emberdeck/formats          model engine)
room(changes          Engine/tools/Emberdeck/changes          formats)
room(app              Engine/tools/Emberdeck/app              changes sourcecontrol)
room(timeline         Engine/tools/Emberdeck/timeline         app)
room(browser          Engine/tools/Emberdeck/browser          app)
room(properties       Engine/tools/Emberdeck/properties       app)
room(shell            Engine/tools/Emberdeck/shell            app)
room(batch            Engine/tools/Emberdeck/batch            app)
room(qt_toolkit       Engine/tools/Emberdeck/qt/toolkit       properties shell)
room(qt_library       Engine/tools/Emberdeck/qt/library       browser qt_toolkit)
room(qt_timeline      Engine/tools/Emberdeck/qt/timeline      timeline qt_toolkit)
room(qt_properties    Engine/tools/Emberdeck/qt/properties    properties qt_toolkit)
room(qt_sourcecontrol Engine/tools/Emberdeck/qt/sourcecontrol qt_toolkit)
room(qt_frame         Engine/tools/Emberdeck/qt/frame         qt_library qt_timeline qt_properties qt_sourcecontrol)
room(qt_program       Engine/tools/Emberdeck/qt/program       qt_frame)
