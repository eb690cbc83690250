<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>About</name>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Aide</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>État</translation>
    </message>
</context>
<context>
    <name>BatchExport</name>
    <message>
        <source>Batch Export</source>
        <translation>Exportation par lot</translation>
    </message>
    <message>
        <source>E&amp;xport records saved in the last</source>
        <translation>E&amp;xporter les dossiers enregistrés pendant les derniers</translation>
    </message>
    <message>
        <source>Number of days</source>
        <translation>Nombre de jours</translation>
    </message>
    <message>
        <source>days</source>
        <translation>jours</translation>
    </message>
    <message>
        <source>&amp;Erase previously exported charts first</source>
        <translation>&amp;Effacer d’abord les courbes déjà exportées</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation>Destination</translation>
    </message>
</context>
<context>
    <name>BatchExportController</name>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>The charts are sent to OsiriX.</source>
        <translation>Les courbes sont envoyées à OsiriX.</translation>
    </message>
    <message>
        <source>The charts go to the folder &apos;%@&apos;. Erasing removes every JPEG picture in it, whatever program made it.</source>
        <translation>Les courbes vont dans le dossier «&#xa0;%@&#xa0;». L’effacement y supprime toute image JPEG, quel que soit le programme qui l’a faite.</translation>
    </message>
    <message>
        <source>The export folder is not available</source>
        <translation>Le dossier d’exportation n’est pas disponible</translation>
    </message>
    <message>
        <source>You can select a new export folder by choosing the Preferences menu item.</source>
        <translation>Vous pouvez choisir un autre dossier d’exportation avec la commande Préférences du menu.</translation>
    </message>
</context>
<context>
    <name>BatchProgress</name>
    <message>
        <source>Batch Export</source>
        <translation>Exportation par lot</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>État</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Exporting %ld of %ld</source>
        <translation>Exportation %ld sur %ld</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>One chart waits to be sent to OsiriX</source>
        <translation>Une courbe attend d’être envoyée à OsiriX</translation>
    </message>
    <message>
        <source>%ld charts wait to be sent to OsiriX</source>
        <translation>%ld courbes attendent d’être envoyées à OsiriX</translation>
    </message>
</context>
<context>
    <name>Document</name>
    <message>
        <source>Untitled</source>
        <translation>Sans titre</translation>
    </message>
    <message>
        <source>Do you want to save the changes to &apos;%@&apos;?</source>
        <translation>Voulez-vous enregistrer les modifications de «&#xa0;%@&#xa0;»&#xa0;?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>Your changes will be lost if you don&apos;t save them.</source>
        <translation>Vos modifications seront perdues si vous ne les enregistrez pas.</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; could not be opened.</source>
        <translation>Le fichier «&#xa0;%@&#xa0;» n’a pas pu être ouvert.</translation>
    </message>
    <message>
        <source>You have %ld documents with unsaved changes. Do you want to review these changes before quitting?</source>
        <translation>%ld documents contiennent des modifications non enregistrées. Voulez-vous les revoir avant de quitter&#xa0;?</translation>
    </message>
    <message>
        <source>Review Changes...</source>
        <translation>Revoir les modifications...</translation>
    </message>
    <message>
        <source>Discard Changes</source>
        <translation>Abandonner les modifications</translation>
    </message>
    <message>
        <source>If you don&apos;t review your documents, all your changes will be lost.</source>
        <translation>Si vous ne revoyez pas vos documents, toutes vos modifications seront perdues.</translation>
    </message>
    <message>
        <source>The document could not be saved as &apos;%@&apos;.</source>
        <translation>Le document n’a pas pu être enregistré sous «&#xa0;%@&#xa0;».</translation>
    </message>
    <message>
        <source>There is no printer.</source>
        <translation>Il n’y a pas d’imprimante.</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; was not printed.</source>
        <translation>Le fichier «&#xa0;%@&#xa0;» n’a pas été imprimé.</translation>
    </message>
    <message>
        <source>The help is not installed.</source>
        <translation>L’aide n’est pas installée.</translation>
    </message>
    <message>
        <source>It was looked for in the folder %@.</source>
        <translation>Elle a été cherchée dans le dossier %@.</translation>
    </message>
    <message>
        <source>The help could not be shown.</source>
        <translation>L’aide n’a pas pu être affichée.</translation>
    </message>
    <message>
        <source>No program opens the page %@.</source>
        <translation>Aucun programme n’ouvre la page %@.</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Dossiers</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Tous les fichiers</translation>
    </message>
    <message>
        <source>&apos;%@&apos; already exists. Do you want to replace it?</source>
        <translation>«&#xa0;%@&#xa0;» existe déjà. Voulez-vous le remplacer&#xa0;?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>There is nothing to print.</source>
        <translation>Il n’y a rien à imprimer.</translation>
    </message>
    <message>
        <source>The printer could not be started.</source>
        <translation>L’impression n’a pas pu commencer.</translation>
    </message>
    <message>
        <source>The printer reported an error.</source>
        <translation>L’imprimante a signalé une erreur.</translation>
    </message>
</context>
<context>
    <name>OrvDocument</name>
    <message>
        <source>The file is empty.</source>
        <translation>Le fichier est vide.</translation>
    </message>
    <message>
        <source>The file is damaged (%@ at byte %ld).</source>
        <translation>Le fichier est endommagé (%@ à l’octet %ld).</translation>
    </message>
    <message>
        <source>The file is not a record of this application.</source>
        <translation>Le fichier n’est pas un dossier de cette application.</translation>
    </message>
    <message>
        <source>The file is damaged (its header is incomplete).</source>
        <translation>Le fichier est endommagé (son en-tête est incomplet).</translation>
    </message>
    <message>
        <source>The file was written by a newer version of the application (%@).</source>
        <translation>Le fichier a été écrit par une version plus récente de l’application (%@).</translation>
    </message>
    <message>
        <source>The file is damaged (its checksum does not match).</source>
        <translation>Le fichier est endommagé (sa somme de contrôle est fausse).</translation>
    </message>
    <message>
        <source>The document could not be printed.</source>
        <translation>Le document n’a pas pu être imprimé.</translation>
    </message>
    <message>
        <source>Another record stands there under this name, and no copy of it could be kept.</source>
        <translation>Un autre dossier s’y trouve sous ce nom, et aucune copie n’a pu en être gardée.</translation>
    </message>
    <message>
        <source>The record &apos;%@&apos; had been removed by somebody else.</source>
        <translation>Le dossier «&#xa0;%@&#xa0;» avait été supprimé par quelqu’un d’autre.</translation>
    </message>
    <message>
        <source>It has been saved again.</source>
        <translation>Il a été enregistré de nouveau.</translation>
    </message>
    <message>
        <source>Another version of the record &apos;%@&apos; was in its place.</source>
        <translation>Une autre version du dossier «&#xa0;%@&#xa0;» se trouvait à sa place.</translation>
    </message>
    <message>
        <source>Yours has been saved. The other one, which somebody else may have written, was kept as &apos;%@&apos;.</source>
        <translation>La vôtre est enregistrée. L’autre, peut-être écrite par quelqu’un d’autre, a été gardée sous le nom «&#xa0;%@&#xa0;».</translation>
    </message>
    <message>
        <source>Unsaved changes to &apos;%@&apos; could not be kept.</source>
        <translation>Les modifications non enregistrées de «&#xa0;%@&#xa0;» n’ont pas pu être gardées.</translation>
    </message>
    <message>
        <source>Unsaved changes to &apos;%@&apos; are about to be dropped.</source>
        <translation>Les modifications non enregistrées de «&#xa0;%@&#xa0;» vont être perdues.</translation>
    </message>
    <message>
        <source>No copy of them could be kept.</source>
        <translation>Aucune copie n’a pu en être gardée.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; was closed with unsaved changes</source>
        <translation>«&#xa0;%@&#xa0;» a été fermé avec des modifications non enregistrées</translation>
    </message>
    <message>
        <source>A copy with the changes was kept as &apos;%@&apos;.</source>
        <translation>Une copie avec les modifications a été gardée sous le nom «&#xa0;%@&#xa0;».</translation>
    </message>
    <message>
        <source>The record &apos;%@&apos; could not be saved.</source>
        <translation>Le dossier «&#xa0;%@&#xa0;» n’a pas pu être enregistré.</translation>
    </message>
    <message>
        <source>A copy was kept as &apos;%@&apos;.</source>
        <translation>Une copie a été gardée sous le nom «&#xa0;%@&#xa0;».</translation>
    </message>
    <message>
        <source>No copy could be kept either.</source>
        <translation>Aucune copie n’a pu être gardée non plus.</translation>
    </message>
    <message>
        <source>Save Elsewhere...</source>
        <translation>Enregistrer ailleurs...</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>Save Elsewhere</source>
        <translation>Enregistrer ailleurs</translation>
    </message>
</context>
<context>
    <name>OrvVersion</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>That is not the address of a web page.</source>
        <translation>Ce n’est pas l’adresse d’une page web.</translation>
    </message>
    <message>
        <source>The server took too long to answer.</source>
        <translation>Le serveur a mis trop de temps à répondre.</translation>
    </message>
    <message>
        <source>The server&apos;s answer is too large.</source>
        <translation>La réponse du serveur est trop volumineuse.</translation>
    </message>
    <message>
        <source>The server leads from one address to the next without end.</source>
        <translation>Le serveur renvoie sans fin d’une adresse à une autre.</translation>
    </message>
    <message>
        <source>The server leads to an address that is not safe.</source>
        <translation>Le serveur renvoie à une adresse qui n’est pas sûre.</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be made.</source>
        <translation>Aucune connexion sûre au serveur n’a pu être établie.</translation>
    </message>
    <message>
        <source>The server broke the connection off.</source>
        <translation>Le serveur a interrompu la connexion.</translation>
    </message>
    <message>
        <source>The server&apos;s answer could not be understood.</source>
        <translation>La réponse du serveur n’a pas pu être comprise.</translation>
    </message>
    <message>
        <source>The server could not be reached.</source>
        <translation>Le serveur n’a pas pu être joint.</translation>
    </message>
    <message>
        <source>The server answered with status %@.</source>
        <translation>Le serveur a répondu par l’état %@.</translation>
    </message>
    <message>
        <source>The list of versions could not be understood.</source>
        <translation>La liste des versions n’a pas pu être comprise.</translation>
    </message>
    <message>
        <source>The list of versions names no version.</source>
        <translation>La liste des versions ne nomme aucune version.</translation>
    </message>
    <message>
        <source>This application does not say where to look for new versions.</source>
        <translation>Cette application ne dit pas où rechercher de nouvelles versions.</translation>
    </message>
    <message>
        <source>%@ is up to date</source>
        <translation>%@ est à jour</translation>
    </message>
    <message>
        <source>Version %@ is the newest one.</source>
        <translation>La version %@ est la plus récente.</translation>
    </message>
    <message>
        <source>The check for a new version failed</source>
        <translation>La recherche d’une nouvelle version a échoué</translation>
    </message>
    <message>
        <source>Version %@ is available. You have version %@.</source>
        <translation>La version %@ est disponible. Vous avez la version %@.</translation>
    </message>
    <message>
        <source>A new version of %@ is available</source>
        <translation>Une nouvelle version de %@ est disponible</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Télécharger</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>The page could not be opened</source>
        <translation>La page n’a pas pu être ouverte</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Préférences</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Dossiers</translation>
    </message>
    <message>
        <source>&amp;Save folder</source>
        <translation>&amp;Dossier d’enregistrement</translation>
    </message>
    <message>
        <source>&amp;Choose...</source>
        <translation>&amp;Choisir...</translation>
    </message>
    <message>
        <source>Choose the save folder</source>
        <translation>Choisir le dossier d’enregistrement</translation>
    </message>
    <message>
        <source>Choose the folder in which records are kept</source>
        <translation>Choisir le dossier du disque où les dossiers sont conservés</translation>
    </message>
    <message>
        <source>S&amp;how</source>
        <translation>&amp;Afficher</translation>
    </message>
    <message>
        <source>Show the save folder</source>
        <translation>Afficher le dossier d’enregistrement</translation>
    </message>
    <message>
        <source>Show this folder in the file manager</source>
        <translation>Afficher ce dossier dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>&amp;Keep records in this folder automatically</source>
        <translation>Conserver automatiquement les dossiers à cet end&amp;roit</translation>
    </message>
    <message>
        <source>Save each record under its identifier, and find it again when the patient returns</source>
        <translation>Enregistrer chaque dossier sous son identifiant et le retrouver quand le patient revient</translation>
    </message>
    <message>
        <source>Charts</source>
        <translation>Courbes</translation>
    </message>
    <message>
        <source>&amp;Export charts to</source>
        <translation>&amp;Exporter les courbes vers</translation>
    </message>
    <message>
        <source>A folder</source>
        <translation>Un dossier</translation>
    </message>
    <message>
        <source>OsiriX</source>
        <translation>OsiriX</translation>
    </message>
    <message>
        <source>Export &amp;folder</source>
        <translation>Dossier d’e&amp;xportation</translation>
    </message>
    <message>
        <source>Ch&amp;oose...</source>
        <translation>C&amp;hoisir...</translation>
    </message>
    <message>
        <source>Choose the export folder</source>
        <translation>Choisir le dossier d’exportation</translation>
    </message>
    <message>
        <source>Choose the folder into which charts are exported</source>
        <translation>Choisir le dossier où les courbes sont exportées</translation>
    </message>
    <message>
        <source>Sho&amp;w</source>
        <translation>A&amp;fficher</translation>
    </message>
    <message>
        <source>Show the export folder</source>
        <translation>Afficher le dossier d’exportation</translation>
    </message>
    <message>
        <source>Start-up script</source>
        <translation>Script de démarrage</translation>
    </message>
    <message>
        <source>This shell scri&amp;pt runs each time the application starts, with all of your rights. Leave it empty to run nothing.</source>
        <translation>Ce scri&amp;pt shell est exécuté à chaque démarrage de l’application, avec tous vos droits. Laissez-le vide pour ne rien exécuter.</translation>
    </message>
    <message>
        <source>Script error</source>
        <translation>Erreur du script</translation>
    </message>
    <message>
        <source>Check S&amp;yntax</source>
        <translation>Vérifier la s&amp;yntaxe</translation>
    </message>
    <message>
        <source>Look for mistakes in the script without running it</source>
        <translation>Chercher les erreurs du script sans l’exécuter</translation>
    </message>
    <message>
        <source>New versions</source>
        <translation>Nouvelles versions</translation>
    </message>
    <message>
        <source>Look for new versions &amp;automatically</source>
        <translation>Rechercher automatiquement de nouvelles ver&amp;sions</translation>
    </message>
    <message>
        <source>&amp;Interval</source>
        <translation>&amp;Intervalle</translation>
    </message>
    <message>
        <source>Daily</source>
        <translation>Chaque jour</translation>
    </message>
    <message>
        <source>Weekly</source>
        <translation>Chaque semaine</translation>
    </message>
    <message>
        <source>Monthly</source>
        <translation>Chaque mois</translation>
    </message>
    <message>
        <source>Last check</source>
        <translation>Dernière vérification</translation>
    </message>
    <message>
        <source>Check &amp;Now</source>
        <translation>Vérifier &amp;maintenant</translation>
    </message>
    <message>
        <source>Look for a new version now</source>
        <translation>Rechercher maintenant une nouvelle version</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Jamais</translation>
    </message>
    <message>
        <source>%@ at %@</source>
        <translation>%@ à %@</translation>
    </message>
    <message>
        <source>Folder Missing</source>
        <translation>Dossier introuvable</translation>
    </message>
    <message>
        <source>The specified folder is not currently available.</source>
        <translation>Le dossier indiqué n’est pas disponible actuellement.</translation>
    </message>
    <message>
        <source>Install OsiriX Plugin</source>
        <translation>Installer le module OsiriX</translation>
    </message>
    <message>
        <source>Once installed, the plugin will be available the next time OsiriX is launched.</source>
        <translation>Une fois installé, le module sera disponible au prochain démarrage d’OsiriX.</translation>
    </message>
    <message>
        <source>OsiriX may be downloaded from </source>
        <translation>OsiriX peut être téléchargé depuis </translation>
    </message>
</context>
<context>
    <name>Script</name>
    <message>
        <source>The script cannot be started: %@</source>
        <translation>Le script ne peut pas être lancé&#xa0;: %@</translation>
    </message>
    <message>
        <source>The script was stopped.</source>
        <translation>Le script a été arrêté.</translation>
    </message>
    <message>
        <source>The script ended with status %@.</source>
        <translation>Le script s’est terminé avec l’état %@.</translation>
    </message>
    <message>
        <source>The script was ended by signal %@.</source>
        <translation>Le script a été terminé par le signal %@.</translation>
    </message>
    <message>
        <source>The shell cannot read this script.</source>
        <translation>Le shell ne peut pas lire ce script.</translation>
    </message>
</context>
<context>
    <name>SplashController</name>
    <message>
        <source>Build %@ (%s)</source>
        <translation>Build %@ (%s)</translation>
    </message>
</context>
<context>
    <name>VelmoraAppController</name>
    <message>
        <source>Caching database...</source>
        <translation>Lecture de la base de données...</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>É&amp;dition</translation>
    </message>
    <message>
        <source>E&amp;xamination</source>
        <translation>E&amp;xamen</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Aide</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Ouvrir...</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>Ouvrir un dossier &amp;récent</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>C&amp;lose All</source>
        <translation>&amp;Tout fermer</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Enregistrer &amp;sous...</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>E&amp;xporter</translation>
    </message>
    <message>
        <source>&amp;Batch Export...</source>
        <translation>Exportation par &amp;lot...</translation>
    </message>
    <message>
        <source>Pa&amp;ge Setup...</source>
        <translation>Mise en pa&amp;ge...</translation>
    </message>
    <message>
        <source>&amp;Print...</source>
        <translation>&amp;Imprimer...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>Prefere&amp;nces...</source>
        <translation>Préfére&amp;nces...</translation>
    </message>
    <message>
        <source>&amp;New Examination</source>
        <translation>&amp;Nouvel examen</translation>
    </message>
    <message>
        <source>&amp;Delete Examination...</source>
        <translation>&amp;Supprimer l’examen...</translation>
    </message>
    <message>
        <source>Ne&amp;xt Examination</source>
        <translation>Examen sui&amp;vant</translation>
    </message>
    <message>
        <source>&amp;Previous Examination</source>
        <translation>Examen &amp;précédent</translation>
    </message>
    <message>
        <source>%@ &amp;Help</source>
        <translation>&amp;Aide de %@</translation>
    </message>
    <message>
        <source>Check for New &amp;Version...</source>
        <translation>Rechercher une nouvelle &amp;version...</translation>
    </message>
    <message>
        <source>&amp;Web Site</source>
        <translation>Site &amp;web</translation>
    </message>
    <message>
        <source>&amp;Contact Support...</source>
        <translation>&amp;Contacter l’assistance...</translation>
    </message>
    <message>
        <source>&amp;About %@</source>
        <translation>À &amp;propos de %@</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Co&amp;ller</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
    <message>
        <source>&amp;Clear Menu</source>
        <translation>&amp;Vider le menu</translation>
    </message>
    <message>
        <source>&amp;Remember Recent Documents</source>
        <translation>&amp;Mémoriser les dossiers récents</translation>
    </message>
    <message>
        <source>Running startup script...</source>
        <translation>Exécution du script de démarrage...</translation>
    </message>
    <message>
        <source>Startup script error</source>
        <translation>Erreur du script de démarrage</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; is no longer there.</source>
        <translation>Le fichier «&#xa0;%@&#xa0;» n’est plus là.</translation>
    </message>
    <message>
        <source>It may have been moved or renamed. The menu of recent documents no longer names it.</source>
        <translation>Il a peut-être été déplacé ou renommé. Le menu des dossiers récents ne le nomme plus.</translation>
    </message>
    <message>
        <source>Periodically check for updates?</source>
        <translation>Rechercher régulièrement des mises à jour&#xa0;?</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Don&apos;t Check</source>
        <translation>Ne pas rechercher</translation>
    </message>
    <message>
        <source>You can change this setting later by choosing Preferences from the %@ menu.</source>
        <translation>Vous pourrez changer ce réglage plus tard dans les préférences de %@.</translation>
    </message>
    <message>
        <source>Set Up Database?</source>
        <translation>Configurer la base de données&#xa0;?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Would you like to automatically configure the default database?

You can alter the default settings later in the preferences.</source>
        <translation>Voulez-vous configurer automatiquement la base de données par défaut&#xa0;?

Vous pourrez modifier ces réglages plus tard dans les préférences.</translation>
    </message>
    <message>
        <source>Update OsiriX Plugin</source>
        <translation>Mettre à jour le module OsiriX</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Mettre à jour</translation>
    </message>
    <message>
        <source>This is a recommended update of the OsiriX plugin.</source>
        <translation>Cette mise à jour du module OsiriX est recommandée.</translation>
    </message>
    <message>
        <source>~/Documents/%@ Data</source>
        <translation>~/Documents/%@ Data</translation>
    </message>
    <message>
        <source>Checking for new version...</source>
        <translation>Recherche d’une nouvelle version...</translation>
    </message>
    <message>
        <source>Version check successful...</source>
        <translation>Recherche d’une nouvelle version terminée...</translation>
    </message>
    <message>
        <source>Version check unsuccessful...</source>
        <translation>Recherche d’une nouvelle version sans succès...</translation>
    </message>
    <message>
        <source>The batch export has closed records with unsaved changes</source>
        <translation>L’exportation par lot a fermé des dossiers dont les modifications n’étaient pas enregistrées</translation>
    </message>
    <message>
        <source>Copies with the changes were kept as:
%@</source>
        <translation>Des copies avec les modifications ont été gardées sous&#xa0;:
%@</translation>
    </message>
    <message>
        <source>No examination was added to &apos;%@&apos;</source>
        <translation>Aucun examen n’a été ajouté à «&#xa0;%@&#xa0;»</translation>
    </message>
    <message>
        <source>Installation Succeeded</source>
        <translation>Installation réussie</translation>
    </message>
    <message>
        <source>The plugin will be available the next time OsiriX is launched.</source>
        <translation>Le module sera disponible au prochain démarrage d’OsiriX.</translation>
    </message>
    <message>
        <source>Installation Failed</source>
        <translation>Échec de l’installation</translation>
    </message>
</context>
<context>
    <name>VelmoraDocument</name>
    <message>
        <source>&amp;Identifier</source>
        <translation>&amp;Identifiant</translation>
    </message>
    <message>
        <source>&amp;Born</source>
        <translation>&amp;Naissance</translation>
    </message>
    <message>
        <source>Exa&amp;mined</source>
        <translation>Exa&amp;men</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Chart</source>
        <translation>Courbe</translation>
    </message>
    <message>
        <source>This entry has already been defined</source>
        <translation>Cette entrée est déjà définie</translation>
    </message>
    <message>
        <source>Modify</source>
        <translation>Modifier</translation>
    </message>
    <message>
        <source>Are you sure you want to modify this item?</source>
        <translation>Voulez-vous vraiment modifier cette entrée&#xa0;?</translation>
    </message>
    <message>
        <source>Are you sure you want to remove this exam?</source>
        <translation>Voulez-vous vraiment retirer cet examen&#xa0;?</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>%ld of %ld</source>
        <translation>%ld sur %ld</translation>
    </message>
    <message>
        <source>A file with that name already exists</source>
        <translation>Un fichier de ce nom existe déjà</translation>
    </message>
    <message>
        <source>Overwrite</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Passer</translation>
    </message>
    <message>
        <source>A file named &apos;%@&apos; is already present in &apos;%@/&apos;.</source>
        <translation>Un fichier nommé «&#xa0;%@&#xa0;» se trouve déjà dans «&#xa0;%@/&#xa0;».</translation>
    </message>
    <message>
        <source>%@ Chart</source>
        <translation>%@ Courbe</translation>
    </message>
    <message>
        <source>Patient Data Found</source>
        <translation>Données du patient trouvées</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>A previously saved data file is available for patient &apos;%@&apos;.  Would you like to open it?</source>
        <translation>Un fichier enregistré auparavant est disponible pour le patient «&#xa0;%@&#xa0;».  Voulez-vous l’ouvrir&#xa0;?</translation>
    </message>
    <message>
        <source>The file was saved for patient &apos;%@&apos;, but the identifier in it reads &apos;%@&apos;.</source>
        <translation>Le fichier a été enregistré pour le patient «&#xa0;%@&#xa0;», mais l’identifiant qu’il contient est «&#xa0;%@&#xa0;».</translation>
    </message>
    <message>
        <source>&apos;%@&apos; is the record of another patient</source>
        <translation>«&#xa0;%@&#xa0;» est le dossier d’un autre patient</translation>
    </message>
    <message>
        <source>Recently Printed</source>
        <translation>Imprimé récemment</translation>
    </message>
    <message>
        <source>This document was printed in the last 30 seconds.</source>
        <translation>Ce document a été imprimé au cours des 30 dernières secondes.</translation>
    </message>
    <message>
        <source>The identifier of this record has changed</source>
        <translation>L’identifiant de ce dossier a changé</translation>
    </message>
    <message>
        <source>New File</source>
        <translation>Nouveau fichier</translation>
    </message>
    <message>
        <source>Same File</source>
        <translation>Même fichier</translation>
    </message>
    <message>
        <source>It was &apos;%@&apos; and is now &apos;%@&apos;. With a new file the record of &apos;%@&apos; stays as it was last saved.</source>
        <translation>Il était «&#xa0;%@&#xa0;» et est maintenant «&#xa0;%@&#xa0;». Avec un nouveau fichier, le dossier de «&#xa0;%@&#xa0;» reste tel qu’il a été enregistré en dernier.</translation>
    </message>
    <message>
        <source>Save changes to document?</source>
        <translation>Enregistrer les modifications du document&#xa0;?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Save As...</source>
        <translation>Enregistrer sous...</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>This is not a date. A date looks like %@.</source>
        <translation>Ce n’est pas une date. Une date s’écrit ainsi&#xa0;: %@.</translation>
    </message>
    <message>
        <source>for example %@</source>
        <translation>par exemple %@</translation>
    </message>
</context>
</TS>
